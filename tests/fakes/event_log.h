/** The log that outlives a fake library: what happened to it, in the file that QXPAF_FAKE_LOG names. */
#ifndef QXPAF_TESTS_FAKES_EVENT_LOG_H
#define QXPAF_TESTS_FAKES_EVENT_LOG_H

namespace fake {

/** Looks the file up; until then, and when there is none, nothing is logged. */
void OpenEventLog();

/** Appends the line "<library> <event>". Works before the first and after the last constructor of the library. */
void LogEvent(const char* library, const char* event);

}  // namespace fake

#endif
