// Response curves: what a signal of one frequency becomes on its way through the stages of a channel epoch.
//
//     const auto stated = stated_response(epoch, 0.05);          // std::abs: amplitude, std::arg: phase
//
// Both functions throw std::runtime_error for a filter of a type that is not known, and for a frequency that a response
// list does not reach.
#ifndef TRIGLUB_TESTS_CURVES_CURVE_H
#define TRIGLUB_TESTS_CURVES_CURVE_H

#include <complex>
#include <vector>

#include "curves/response_document.h"

namespace triglub_curves {

using Complex = std::complex<double>;

// What the filter makes of a signal of `frequency` hertz, without the gain; a digital one counts its delay from its
// first coefficient.
Complex filter_response(const Stage& stage, double frequency);

// Every coefficient of a filter, those that its symmetry leaves out among them.
std::vector<double> all_coefficients(const FirFilter& filter);

// Factors, gains and coefficients multiplied as they stand; each filter without feedback is centred on itself.
Complex stated_response(const ChannelEpoch& epoch, double frequency);

// As clients do that trust the gains alone: counts per metre and not per nanometre, filters normalized at the frequency
// of their stage's gain; a filter without feedback only where its coefficients do not sum up to one, or where the
// sensitivity is of another frequency than the gain. Delays are taken out: all of a symmetric filter's, of others what
// the document says was corrected.
Complex renormalized_response(const ChannelEpoch& epoch, double frequency);

}  // namespace triglub_curves

#endif
