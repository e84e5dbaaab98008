// What a mutated source is made of: every place that can be changed asks here whether it is the one
// that is changed in this run. Included before anything else of the source.
#pragma once

namespace mutants {

// Whether the mutant of this number is the one that runs.
bool on(int mutant);

template <class A, class B>
bool less(int m, const A& a, const B& b) {
  return on(m) ? a <= b : a < b;
}
template <class A, class B>
bool lessEqual(int m, const A& a, const B& b) {
  return on(m) ? a < b : a <= b;
}
template <class A, class B>
bool greater(int m, const A& a, const B& b) {
  return on(m) ? a >= b : a > b;
}
template <class A, class B>
bool greaterEqual(int m, const A& a, const B& b) {
  return on(m) ? a > b : a >= b;
}
template <class A, class B>
bool equal(int m, const A& a, const B& b) {
  return on(m) ? a != b : a == b;
}
template <class A, class B>
bool unequal(int m, const A& a, const B& b) {
  return on(m) ? a == b : a != b;
}

template <class A, class B>
auto plus(int m, const A& a, const B& b) {
  return on(m) ? a - b : a + b;
}
template <class A, class B>
auto minus(int m, const A& a, const B& b) {
  return on(m) ? a + b : a - b;
}
template <class A, class B>
auto times(int m, const A& a, const B& b) {
  return on(m) ? a / b : a * b;
}
template <class A, class B>
auto over(int m, const A& a, const B& b) {
  return on(m) ? a * b : a / b;
}

template <class A, class B>
A& addTo(int m, A& a, const B& b) {
  return on(m) ? a -= b : a += b;
}
template <class A, class B>
A& takeFrom(int m, A& a, const B& b) {
  return on(m) ? a += b : a -= b;
}
template <class A, class B>
A& multiply(int m, A& a, const B& b) {
  return on(m) ? a /= b : a *= b;
}
template <class A, class B>
A& divide(int m, A& a, const B& b) {
  return on(m) ? a *= b : a /= b;
}

// The second operand is a function: what decides whether it is looked at stays the operator.
template <class B>
bool both(int m, bool a, const B& b) {
  return on(m) ? a || b() : a && b();
}
template <class B>
bool either(int m, bool a, const B& b) {
  return on(m) ? a && b() : a || b();
}

template <class T>
T number(int m, T value) {
  return on(m) ? static_cast<T>(value + 1) : value;
}
inline bool flag(int m, bool value) {
  return on(m) != value;
}
inline bool negated(int m, bool value) {
  return on(m) == value;
}

}  // namespace mutants
