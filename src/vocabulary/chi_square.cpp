#include "vocabulary/chi_square.h"

#include <cmath>
#include <limits>

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/policies/policy.hpp>

namespace gae {

namespace {

// Errors become NaN instead of exceptions: nothing may be thrown towards the C exports.
using NoThrow = boost::math::policies::policy<
    boost::math::policies::domain_error<boost::math::policies::ignore_error>,
    boost::math::policies::overflow_error<boost::math::policies::ignore_error>,
    boost::math::policies::evaluation_error<boost::math::policies::ignore_error>,
    boost::math::policies::promote_double<false>>;

}  // namespace

float CHIDF(float x, float df) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  if (std::isnan(x) || !(df > 0.0f) || std::isinf(df)) return nan;
  if (x <= 0.0f) return 0.0f;
  if (std::isinf(x)) return 1.0f;
  // Evaluated in double and rounded once.
  const boost::math::chi_squared_distribution<double, NoThrow> dist(df);
  return static_cast<float>(boost::math::cdf(dist, static_cast<double>(x)));
}

}  // namespace gae
