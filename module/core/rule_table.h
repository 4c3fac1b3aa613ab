// Tables of rules: a list of rows, each for a set of members of a family. A member that no row or
// more than one row covers does not compile.
#pragma once

#include <cstddef>
#include <initializer_list>

namespace zbuffer {

/// A set of values of one enumeration; without values, all of them.
template <class Enum>
struct Any {
  unsigned bits = ~0u;

  constexpr Any() = default;
  constexpr Any(Enum value) : bits(1u << static_cast<unsigned>(value)) {}
  constexpr Any(std::initializer_list<Enum> values) : bits(0) {
    for (Enum value : values) bits |= Any(value).bits;
  }
  constexpr bool has(Enum value) const { return (bits >> static_cast<unsigned>(value)) & 1; }
};

/// A rule for the members that `where` covers.
template <class Where, class Rule>
struct Rule_Row {
  Where where;
  Rule rule;
};

/// The rule of the one row that covers `member`.
template <class Where, class Rule, std::size_t count, class Member>
constexpr Rule the_rule(const Rule_Row<Where, Rule> (&rows)[count], Member member) {
  std::size_t found = count;
  for (std::size_t i = 0; i < count; ++i) {
    if (!rows[i].where.covers(member)) continue;
    if (found != count) throw "two rows for one member";
    found = i;
  }
  if (found == count) throw "no row for a member";
  return rows[found].rule;
}

}  // namespace zbuffer
