#ifndef QXPAF_SRC_CONFIG_SETTING_H
#define QXPAF_SRC_CONFIG_SETTING_H

#include <string>

#include "config/morvex_config.h"

namespace qxpaf {

/** Reads one value from the configuration file, afresh. @return 0 or the configuration error code */
inline int ReadSetting(const std::string& key, const std::string& name, std::string& value)
{
  MorvexConfig config;
  return config.OpenKey(key, 0) && config.ReadValue(name, value) ? 0 : config.LastError();
}

}  // namespace qxpaf

#endif
