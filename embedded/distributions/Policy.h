// How the library's functions are called: in double, and answering with NaN instead of throwing.
#pragma once

#include <boost/math/policies/policy.hpp>

namespace embedded::distributions {

// Never promotes to a wider type, never throws; what fails sets errno and comes back as NaN or an
// infinity, which callers test for.
using Quiet = boost::math::policies::policy<
    boost::math::policies::promote_float<false>, boost::math::policies::promote_double<false>,
    boost::math::policies::domain_error<boost::math::policies::errno_on_error>,
    boost::math::policies::pole_error<boost::math::policies::errno_on_error>,
    boost::math::policies::overflow_error<boost::math::policies::errno_on_error>,
    boost::math::policies::evaluation_error<boost::math::policies::errno_on_error>,
    boost::math::policies::rounding_error<boost::math::policies::errno_on_error>,
    boost::math::policies::indeterminate_result_error<boost::math::policies::errno_on_error>>;

}  // namespace embedded::distributions
