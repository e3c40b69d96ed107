// A program of somebody else's: counts the errors of a document on standard input.
#include <document_checks.h>

#include <cstdio>
#include <iostream>

int main() {
  const triglub::DocumentCounts counts = triglub::check_document(
      std::cin, [](const triglub::DocumentFinding& finding) { std::puts(finding.text.c_str()); });
  std::printf("%llu errors\n", static_cast<unsigned long long>(counts.errors));
  return 0;
}
