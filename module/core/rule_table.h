// Tables of rules: what a family does as a rule, and the members that differ.
//
// A member is known by its properties, each an enumerator of its own type. A row names a set of
// members by the properties that matter, in any order; a property that is not named may be any.
//
//   inline constexpr auto row_rules = rule_table<Members>(Row_Rule::trusted, {
//       {{rgb_alpha, flat | colorized, inside}, Row_Rule::guarded}});
//
// Rows narrow the rule. Two rows that cover one member do not compile.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace zbuffer {

/// How many enumerators a property has, counted from 0.
template <class Enum>
inline constexpr std::size_t value_count = 0;

/// A set of values of one property; by default all of them.
template <class Enum>
struct Any {
  unsigned bits = ~0u;

  constexpr Any() = default;
  constexpr Any(Enum value) : bits(1u << static_cast<unsigned>(value)) {}
  constexpr bool has(Enum value) const { return (bits >> static_cast<unsigned>(value)) & 1; }
  constexpr bool meets(Any other) const {
    return (bits & other.bits & ((1u << value_count<Enum>)-1)) != 0;
  }
};

template <class Enum>
requires(value_count<Enum> > 0) constexpr Any<Enum> operator|(Any<Enum> a,
                                                              std::type_identity_t<Any<Enum>> b) {
  a.bits |= b.bits;
  return a;
}
template <class Enum>
requires(value_count<Enum> > 0) constexpr Any<Enum> operator|(Enum a, Enum b) {
  return Any<Enum>(a) | b;
}

/// The members of a family that some properties are true of.
template <class... Properties>
class Members {
 public:
  /// Places: each property has bits of its own, the last one the lowest. Some are of no member.
  static constexpr std::size_t count = std::size_t{1}
                                       << (std::bit_width(value_count<Properties> - 1) + ...);

  template <class... Given>
  constexpr Members(Given... given) {
    (set(given), ...);
  }

  constexpr bool covers(const std::tuple<Properties...>& member) const {
    return (std::get<Any<Properties>>(sets_).has(std::get<Properties>(member)) && ...);
  }
  constexpr bool meets(const Members& other) const {
    return (std::get<Any<Properties>>(sets_).meets(std::get<Any<Properties>>(other.sets_)) && ...);
  }

  /// A member's place among all, below `count`.
  static constexpr std::size_t index(Properties... properties) {
    return ((static_cast<std::size_t>(properties) << shift<Properties>()) | ...);
  }
  /// The property of the member at a place.
  template <class Enum>
  static constexpr Enum property(std::size_t place) {
    return static_cast<Enum>((place >> shift<Enum>()) & mask<Enum>());
  }
  /// The place of the member that differs from that at `place` in one property.
  template <class Enum>
  static constexpr std::size_t with(std::size_t place, Enum value) {
    return (place & ~(mask<Enum>() << shift<Enum>())) |
           (static_cast<std::size_t>(value) << shift<Enum>());
  }
  /// The member at a place.
  static constexpr std::tuple<Properties...> member(std::size_t place) {
    return {property<Properties>(place)...};
  }

 private:
  template <class Enum>
  static constexpr std::size_t mask() {
    return (std::size_t{1} << std::bit_width(value_count<Enum> - 1)) - 1;
  }
  /// The bits of all properties after `Enum`.
  template <class Enum>
  static constexpr int shift() {
    int bits = 0;
    bool after = false;
    ((bits += after ? static_cast<int>(std::bit_width(value_count<Properties> - 1)) : 0,
      after = after || std::is_same_v<Enum, Properties>),
     ...);
    return bits;
  }

  template <class Enum>
  constexpr void set(Enum value) {
    std::get<Any<Enum>>(sets_) = value;
  }
  template <class Enum>
  constexpr void set(Any<Enum> values) {
    std::get<Any<Enum>>(sets_) = values;
  }

  std::tuple<Any<Properties>...> sets_;
};

/// A rule for the members that `where` covers.
template <class Where, class Rule>
struct Rule_Row {
  Where where;
  Rule rule;
};

template <class Where, class Rule, std::size_t row_count>
class Rule_Table {
 public:
  using Row = Rule_Row<Where, Rule>;

  consteval Rule_Table(Rule usual, const Row (&rows)[row_count])
      : usual_(usual), rows_(std::to_array(rows)) {
    for (std::size_t i = 0; i < row_count; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (rows[i].where.meets(rows[j].where)) throw "two rows for one member";
      }
    }
  }

  /// The rule of `member`, which has its properties as a tuple.
  template <class Member>
  constexpr Rule operator()(const Member& member) const {
    return of(member.properties());
  }
  /// The rules of all members, by their index.
  constexpr std::array<Rule, Where::count> all() const {
    std::array<Rule, Where::count> rules{};
    for (std::size_t i = 0; i < Where::count; ++i) rules[i] = of(Where::member(i));
    return rules;
  }

 private:
  template <class Properties>
  constexpr Rule of(const Properties& properties) const {
    for (const Row& row : rows_) {
      if (row.where.covers(properties)) return row.rule;
    }
    return usual_;
  }

  Rule usual_;
  std::array<Row, row_count> rows_;
};

/// A table by the usual rule and the rows of those that differ.
template <class Where, class Rule, std::size_t row_count>
consteval auto rule_table(Rule usual,
                          const Rule_Row<Where, std::type_identity_t<Rule>> (&rows)[row_count]) {
  return Rule_Table<Where, Rule, row_count>(usual, rows);
}

}  // namespace zbuffer
