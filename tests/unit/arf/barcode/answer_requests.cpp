// Answers the plug-in's property requests, one a line of standard input: a status, a space and the text. For scripts
// that compare the plug-in with other programs.
#include <iostream>
#include <string>

#include "qxpaf/arf_plugin.h"

int main()
{
  std::ios::sync_with_stdio(false);
  for (std::string request; std::getline(std::cin, request);) {
    char out[128];
    const int status = GetOtherProperties(request.c_str(), out, sizeof out);
    std::cout << status << ' ' << out << '\n';
  }
  return std::cout.flush() ? 0 : 1;
}
