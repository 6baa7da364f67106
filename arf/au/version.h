/** The versions that the plug-in answers. */
#ifndef QXPAF_ARF_AU_VERSION_H
#define QXPAF_ARF_AU_VERSION_H

#include <string_view>

namespace arf {

/** Of the library that the plug-in belongs to; CMake passes the project's version. */
inline constexpr std::string_view kLibVersion = QXPAF_VERSION;

/** Of the address engine. */
inline constexpr std::string_view kEngineVersion = "1.0.0";

}  // namespace arf

#endif
