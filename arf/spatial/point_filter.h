/** Which points a search answers. */
#ifndef QXPAF_ARF_SPATIAL_POINT_FILTER_H
#define QXPAF_ARF_SPATIAL_POINT_FILTER_H

#include <cstdint>

namespace arf {

class PointFilter
{
 public:
  virtual bool Takes(std::uint32_t ordinal) = 0;

 protected:
  ~PointFilter() = default;
};

}  // namespace arf

#endif
