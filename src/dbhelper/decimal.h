// Numbers of the database's texts, and with six decimals, as values of the document have them.
#ifndef TRIGLUB_SRC_DBHELPER_DECIMAL_H
#define TRIGLUB_SRC_DBHELPER_DECIMAL_H

#include <string>

namespace triglub {

// std::stod, but with the point of the database's texts, whatever locale the program has chosen. Throws
// std::invalid_argument and std::out_of_range as that does.
double number_of(const std::string& text);

// The number with six decimals, as std::to_string writes it in the classic locale.
std::string six_decimals(double value);

}  // namespace triglub

#endif
