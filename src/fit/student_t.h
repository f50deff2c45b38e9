#pragma once
// Student's t distribution, for the confidence intervals of fitted values.

namespace voltrix {

// The regularised incomplete beta function I_x(a, b), a and b above 0,
// x from 0 to 1: the probability that a beta(a, b) variable stays below x.
double RegularizedIncompleteBeta(double a, double b, double x);

// P(T > t) for Student's t with `dof` degrees of freedom.
double StudentTUpperTail(double t, double dof);

// The t that a Student's t variable with `dof` degrees of freedom stays
// below with probability p (0.975 gives the half-width factor of a 95 %
// two-sided interval).
double StudentTQuantile(double p, double dof);

}  // namespace voltrix
