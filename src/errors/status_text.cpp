#include "errors/status_text.h"

#include <algorithm>
#include <iterator>

#include "qxpaf/paf.h"
#include "qxpaf/registry.h"

namespace qxpaf {
namespace {

struct Row
{
  int code;
  const char* text;
};

constexpr Row kRows[] = {
    {PAF_ERR_SHORT_BUFFER, "Buffer too small"},
    {PAF_ERR_SERVER_CALL, "Call to socket server not recognised"},
    {PAF_ERR_SOCKET_CREATE, "Socket call"},
    {PAF_ERR_SOCKET_OPTION, "set socket option"},
    {PAF_ERR_SOCKET_BIND, "socket bind"},
    {PAF_ERR_SOCKET_LISTEN, "socket listen"},
    {PAF_ERR_SOCKET_CONNECT, "socket connect"},
    {PAF_ERR_SOCKET_HOST, "unknown socket host"},
    {PAF_ERR_SOCKET_SERVICE, "unknown socket service"},
    {PAF_ERR_SOCKET_TIMEOUT, "socket timed out"},
    {PAF_ERR_SOCKET_SELECT, "socket select"},
    {PAF_ERR_SERVER_UNKNOWN_CALL, "ERR_SOCSVR_CALL_NOT_RECOGNISED"},
    {PAF_ERR_SERVER_ACCEPT, "ERR_SOCSVR_ACCEPT"},
    {PAF_ERR_SERVER_INPUT_TOO_LONG, "ERR_SOCSVR_INPUT_TOO_LONG"},
    {PAF_ERR_SERVER_CREATE_THREAD, "ERR_SOCSVR_CREATE_THREAD"},
    {PAF_ERR_SERVER_THREAD_LIMIT, "ERR_SOCSVR_THREAD_LIMIT"},
    {PAF_ERR_SOCKET_READLINE, "ERR_SOC_READLINE"},
    {PAF_ERR_SOCKET_SEND, "ERR_SOC_SEND"},
    {PAF_ERR_SOCKET_RESPONSE_TOO_LONG, "ERR_SOC_RESPONSE_TOO_LONG"},
    {PAF_ERR_SOCKET_BROKEN, "ERR_SOC_BROKEN"},
    {PAF_ERR_NOT_INITIALISED, "Paf library not initialised"},
    {PAF_ERR_THREAD_VALUE_GET, "TlsGetValue Error"},
    {PAF_ERR_THREAD_VALUE_SET, "TlsSetValue / pthread_setspecific error"},
    {PAF_ERR_THREAD_KEY, "TlsAlloc / pthread_key_create error"},
    {PAF_ERR_OUT_OF_MEMORY, "Out of Memory"},
    {PAF_ERR_INVALID_ID, "Invalid Id passed to function"},
    {PAF_ERR_BUFFER_TOO_SMALL, "Buffer too small"},
    {PAF_ERR_NOT_IMPLEMENTED, "Functionality not implemented"},
    {PAF_ERR_TIMED_OUT, "Action timed out"},
    {PAF_ERR_HAS_SEARCHER, "System error. Have FindPaf object"},
    {PAF_ERR_NO_SEARCHER, "System error. No FindPaf object"},
    {PAF_ERR_ID_IN_USE, "Id already in use"},
    {PAF_ERR_NOT_OPEN, "PAF files not open"},
    {PAF_ERR_NO_DATABASE_OBJECT, "ERR_QXARF_SYSTEM_ERROR_1"},
    {PAF_ERR_BARCODE, "ERR_QXARF_BARCODE"},
    {PAF_ERR_DEFAULT_NOT_AU, "ERR_QXARF_DEFAULT_ARF_NOT_AU"},
    {PAF_ERR_PLUGIN_SYSTEM, "ERR_QXARF_SYSTEM_1"},
    {PAF_ERR_OPEN_FILE, "ERR_QXARF_OPEN_FILE"},
    {PAF_ERR_PLUGIN_MEMORY, "ERR_QXARF_OUTOFMEMORY"},
    {PAF_ERR_UNKNOWN_COUNTRY, "ERR_QXARF_UNKNOWN_COUNTRY"},
    {PAF_ERR_CONFIGURATION, "Cannot open registry or configuration file"},
    {PAF_ERR_NOT_CONFIGURED, "ARF not installed"},
};

constexpr bool CodeBefore(const Row& a, const Row& b)
{
  return a.code < b.code;
}

static_assert(std::is_sorted(std::begin(kRows), std::end(kRows), CodeBefore));

}  // namespace

const char* StatusText(int code)
{
  const Row* row = std::lower_bound(std::begin(kRows), std::end(kRows), Row{code, nullptr}, CodeBefore);
  return row != std::end(kRows) && row->code == code ? row->text : nullptr;
}

int RegistryErrorToPafError(int code)
{
  switch (code) {
    case kRegistryNoFile:
    case kRegistryReserved:
      return PAF_ERR_CONFIGURATION;
    case kRegistryKeyTooLong:
    case kRegistryNotFound:
      return PAF_ERR_NOT_CONFIGURED;
    default:
      return code;
  }
}

}  // namespace qxpaf
