// The C locale, whatever locale the program has chosen: the numbers of files and documents have a point.
#ifndef TRIGLUB_BASE_C_LOCALE_H
#define TRIGLUB_BASE_C_LOCALE_H

#include <clocale>

namespace triglub {

// Lives as long as the process; any number of threads may use it.
locale_t c_locale();

// std::strtod in the C locale, errno included.
double c_strtod(const char* text, char** end);

}  // namespace triglub

#endif
