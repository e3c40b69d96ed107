// Standard input, output and error of a process that was started without one of them.
#ifndef TRIGLUB_TOOL_STANDARD_DESCRIPTORS_H
#define TRIGLUB_TOOL_STANDARD_DESCRIPTORS_H

namespace triglub::tool {

// Opens each of the descriptors 0 to 2 that is closed, so that no file of the process gets its number: messages would
// go into the document. Of a standard input and output opened here, reading and writing fail; what is written to such a
// standard error is lost. To be called before any file is opened. Ends the process, status 1, where one cannot be.
void open_standard_descriptors();

}  // namespace triglub::tool

#endif
