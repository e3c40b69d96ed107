// Instrument responses: the records of a response file and their reader.
//
// A response file holds one or more filter groups, each introduced by a line such as
//
//     theoretical  1  instrument  paz  author or source
//
// Poles and zeros are in radians per second, FIR delays in samples, phases in degrees.
// doc/response-files.md describes the format in full.
#ifndef TRIGLUB_PLATFORM_RESPONSE_H
#define TRIGLUB_PLATFORM_RESPONSE_H

#include <complex>
#include <string>
#include <vector>

#include "platform/export.h"

// The type code of a filter group.
enum ResponseType : int {
  RESPONSE_PAZ = 0,
  RESPONSE_IIR = 1,
  RESPONSE_FIR = 2,
  RESPONSE_FAP = 3,
  RESPONSE_FAP2 = 4,
  RESPONSE_OTHER = 5,  // any other type word; nothing of such a group is kept but its name
};

// Analogue poles and zeros.
struct Paz {
  double normalization = 1.0;                     // factor A0
  double normalization_frequency = 1.0;           // Hz; 1 when the file does not state it
  std::vector<std::complex<double>> poles;        // radians per second
  std::vector<std::complex<double>> pole_errors;  // as many as poles; 0 where not given
  std::vector<std::complex<double>> zeros;        // radians per second
  std::vector<std::complex<double>> zero_errors;  // as many as zeros; 0 where not given
};

// A digital filter by its coefficients. A symmetric filter holds all its coefficients, not half of them.
struct Fir {
  double samprate = 0.0;  // rate of the filter's input, samples per second
  double delay = -1.0;    // samples; negative when the file does not state it
  std::vector<double> numerators;
  std::vector<double> numerator_errors;  // as many as numerators; 0 where not given
  std::vector<double> denominators;
  std::vector<double> denominator_errors;  // as many as denominators; 0 where not given
};

// A recursive digital filter: the same fields as Fir, the delay never stated.
struct Iir : Fir {};

// A table of frequency (Hz), amplitude and phase (degrees) with the errors of the last two.
struct Fap {
  std::vector<double> frequencies;
  std::vector<double> amplitudes;
  std::vector<double> phases;
  std::vector<double> amplitude_errors;
  std::vector<double> phase_errors;
};
struct Fap2 : Fap {};

// One filter group. `filter` points to the Paz, Fir, Iir, Fap or Fap2 that `type` says, and is null for
// RESPONSE_OTHER; the record belongs to the Response.
struct ResponseGroup {
  int type = RESPONSE_OTHER;
  std::string type_name;    // "paz", "fir", ... as the file spells it
  std::string source;       // "theoretical" or "measured"
  int sequence = 0;         // the header's number, not checked
  std::string description;  // the header's third word
  std::string author;       // the rest of the header; may be empty
  void* filter = nullptr;
};

// A response file. Made by get_response or by hand; released with free_response, which also frees the filters
// (made with plain `new`).
struct Response {
  int group_count = 0;  // the number of groups, kept beside the vector for readers of the classic record
  std::vector<ResponseGroup> groups;
};

// The limits of one file until others are set (platform/limits.h); what goes beyond them is a failed read.
inline constexpr long MAX_RESPONSE_ENTRIES = 100000;  // poles, zeros, coefficients or rows of one count
inline constexpr long MAX_RESPONSE_BYTES = 64L * 1024 * 1024;

// Reads a response file. 0: *response is a new object that the caller releases with free_response. -1: the file
// cannot be read; -2: it does not hold to the format; *response is then null, and a debug message has named file,
// line and fault.
TRIGLUB_API int get_response(const char* path, Response** response);

// As get_response, silently: the message comes in *fault ("resp/x.fir:12: expected 31 numerators, found 7")
// instead, which must not be null.
TRIGLUB_API int read_response(const char* path, Response** response, std::string* fault);

// Releases a response and its filters; null does nothing.
TRIGLUB_API void free_response(Response* response);

// Copies the type name of group `stage` (from 0) into `type`, which needs room for 64 bytes (a longer name is cut).
// 0 on success; -1, `type` untouched, when there is no such group or the response is null.
TRIGLUB_API int get_response_stage_type(Response* response, int stage, char* type);

#endif
