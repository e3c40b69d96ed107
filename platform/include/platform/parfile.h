// Parameter files: text files of keys with values, lists of lines and nested tables.
//
//     # a comment: the first non-blank character of the line is '#'
//     root_node   document
//     document &Arr{
//         name     FDSNStationXML
//         elements &Tbl{
//             Source  - text  Example network
//         }
//     }
//
// pfget_string(pf, "root_node") is "document"; pfget_string(pf, "document{name}") is "FDSNStationXML";
// pfget_tbl(pf, "document{elements}") is a list of one line. A key that is absent, or names another kind of
// entry, gives null. doc/parameter-files.md describes the format in full.
#ifndef TRIGLUB_PLATFORM_PARFILE_H
#define TRIGLUB_PLATFORM_PARFILE_H

#include <string>
#include <string_view>
#include <vector>

#include "platform/containers.h"
#include "platform/export.h"

struct Pf;

// Reads a parameter file into a new object, which the caller releases with pffree.
// A name with '/' in it or ending in ".pf" is a path; any other NAME is looked for as NAME.pf in the current
// folder, then in the folders of TRIGLUB_PFPATH (colon-separated), then in triglub's own data folder, found from
// where the library is.
// Returns 0; -1 not found; -2 not readable; -3 malformed, after a complaint that names file, line and fault.
// *pf is set to null unless 0 is returned.
TRIGLUB_API int pfread(const char* name, Pf** pf);

// The paths that pfread looks at for a name, in order: it reads the first that is there.
TRIGLUB_API std::vector<std::string> pf_candidates(std::string_view name);

// As pfread, of a text in memory; `name` stands for the file in complaints. Returns 0 or -3.
TRIGLUB_API int pfparse(std::string_view text, const char* name, Pf** pf);

// The string at a key; null when there is none. The text belongs to the object and is valid until the key is set
// again or the object is freed.
TRIGLUB_API char* pfget_string(Pf* pf, const char* key);

// The list at a key (elements are `char*` lines); null when there is none. The list and its lines belong to the object.
TRIGLUB_API Tbl* pfget_tbl(Pf* pf, const char* key);

// The line of the file (from 1) on which line i of the list at a key stands; 0 when there is no such line, or the list
// was made in memory. For messages.
TRIGLUB_API long pf_line(Pf* pf, const char* key, long i);

// The line of the file (from 1) of a key: of its string, or of the opening of its list or table. 0 when there is no
// such key, or it was set in memory. For messages.
TRIGLUB_API long pf_key_line(Pf* pf, const char* key);

// The path of the file the object was read from; empty for one built in memory.
TRIGLUB_API const char* pf_path(Pf* pf);

// A new, empty object, which the caller releases with pffree.
TRIGLUB_API Pf* pfnew();
// Sets a string, a list or an empty table at a key ("a{b}{c}"; tables on the way are made). What stood there goes.
// Returns 0; -1 for a key that cannot be written to a file (empty, or holding blanks, braces out of place or '#' at
// its start, or more than 100 blocks deep), or a text that cannot (line ends; blanks at the ends; zero bytes; not
// UTF-8; a string that opens a block or only just fails to; a list line that is empty, "}" or a comment).
TRIGLUB_API int pfput_string(Pf* pf, const char* key, std::string_view value);
TRIGLUB_API int pfput_tbl(Pf* pf, const char* key, const std::vector<std::string>& lines);
TRIGLUB_API int pfput_arr(Pf* pf, const char* key);
// The keys of the table at `key` (the empty text for the top level), in file order; empty when there is no such table.
TRIGLUB_API std::vector<std::string> pf_keys(Pf* pf, const char* key);
// The object as the text of a parameter file; reading it gives an equal object.
TRIGLUB_API std::string pf2text(Pf* pf);
// True when both hold the same entries (order of keys does not count, order of lines does).
TRIGLUB_API bool pf_equal(Pf* a, Pf* b);
// Releases the object; null does nothing.
TRIGLUB_API void pffree(Pf* pf);

#endif
