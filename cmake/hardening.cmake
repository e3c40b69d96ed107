# What makes a mistake in the program end it instead of letting it do harm. Only in release builds: the others are for
# finding mistakes, with sanitizers that see more, and fortified functions need an optimizer.
include(CheckPIESupported)
check_pie_supported()
add_compile_options($<$<CONFIG:Release>:-fstack-protector-strong>)
add_compile_definitions($<$<CONFIG:Release>:_GLIBCXX_ASSERTIONS>)
# Some compilers define it by themselves, which would make a second value an error.
add_compile_options($<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2>)
# All symbols are found at the start, and the tables of their addresses are read only from then on.
add_link_options($<$<CONFIG:Release>:-Wl,-z,relro,-z,now> $<$<CONFIG:Release>:-Wl,-z,noexecstack>)
