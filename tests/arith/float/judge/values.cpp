// The operands that routines are judged on.
#include "tests/arith/float/judge/values.h"

#include <algorithm>
#include <cassert>
#include <map>

namespace quern::judge {
namespace {

using values = std::vector<std::uint64_t>;

// A format, told by its widths.
struct layout {
  int exponent_bits, fraction_bits;

  constexpr std::uint64_t hidden() const { return std::uint64_t{1} << fraction_bits; }
  constexpr int top_exponent() const { return (1 << exponent_bits) - 1; }
  constexpr int bias() const { return top_exponent() / 2; }
  constexpr std::uint64_t sign() const { return std::uint64_t{1} << (exponent_bits + fraction_bits); }
  constexpr std::uint64_t number(int exponent, std::uint64_t fraction = 0) const {
    return (static_cast<std::uint64_t>(exponent) << fraction_bits) | fraction;
  }
};

constexpr layout layouts[] = {{5, 10}, {8, 23}, {11, 52}};

constexpr const layout& layout_of(operand_kind kind) { return layouts[static_cast<int>(kind)]; }

void sort_out(values& list) {
  std::ranges::sort(list);
  const auto rest = std::ranges::unique(list);
  list.erase(rest.begin(), rest.end());
}

values with_both_signs(values list, std::uint64_t sign) {
  const std::size_t size = list.size();
  for (std::size_t i = 0; i != size; ++i) list.push_back(list[i] | sign);
  sort_out(list);
  return list;
}

// Exponent fields at the ends of the range, about 1, and where the last bit of a product, a sum or an integer lies.
values corner_exponents(const layout& f) {
  const int top = f.top_exponent(), bias = f.bias(), m = f.fraction_bits;
  values list;
  for (const int e : {1, 2, m, bias / 2, bias - m - 1, bias - m, bias - 1, bias, bias + 1, bias + m - 1, bias + m,
                      bias + m + 1, top - 2, top - 1})
    list.push_back(static_cast<std::uint64_t>(e));
  sort_out(list);
  return list;
}

values float_corners(const layout& f) {
  const std::uint64_t hidden = f.hidden(), quiet = hidden >> 1, half_long = std::uint64_t{1} << (f.fraction_bits / 2);
  values list{0, 1, 2, 3, half_long, half_long - 1, quiet - 1, quiet, quiet + 1, hidden - 2, hidden - 1};
  for (const std::uint64_t e : corner_exponents(f)) {
    const std::uint64_t power = f.number(static_cast<int>(e));
    for (const std::uint64_t x : {power, power + 1, power - 1}) list.push_back(x);
    for (const std::uint64_t x : {half_long + 1, quiet, quiet + half_long}) list.push_back(power | x);
  }
  const std::uint64_t infinity = f.number(f.top_exponent());
  for (const std::uint64_t payload : {std::uint64_t{0}, std::uint64_t{1}, half_long + 5, quiet - 1})
    for (const std::uint64_t x : {payload, quiet | payload}) list.push_back(infinity | x);  // a payload of 0: infinity
  return with_both_signs(list, f.sign());
}

// Powers of two and their neighbours, and numbers of one bit more than a significand holds, or two; negated as well.
values integer_corners(int bits) {
  const std::uint64_t mask = ~std::uint64_t{0} >> (64 - bits);
  values list{0};
  for (int bit = 0; bit != bits; ++bit) {
    const std::uint64_t power = std::uint64_t{1} << bit;
    for (const std::uint64_t x : {power, power + 1, power - 1, power | power >> 11 | power >> 12,
                                  power | power >> 24 | power >> 25, power | power >> 53})
      for (const std::uint64_t y : {x, std::uint64_t{0} - x}) list.push_back(y & mask);
  }
  sort_out(list);
  return list;
}

// Values of `f` about those of the narrower `to`: fractions of which the top bits are its, and the rest near 0 or 1/2.
void add_narrower(const layout& f, const layout& to, values& list) {
  const int spare = f.fraction_bits - to.fraction_bits;
  const std::uint64_t ulp = std::uint64_t{1} << spare, half = ulp >> 1, last = to.hidden() - 1;
  for (int e = -to.bias() - to.fraction_bits - 2; e <= to.bias() + 2; ++e)
    for (const std::uint64_t kept : {std::uint64_t{0}, std::uint64_t{1}, last / 3, last - 1, last})
      for (const std::uint64_t rest : {std::uint64_t{0}, std::uint64_t{1}, half - 1, half, half + 1, ulp - 1})
        list.push_back(f.number(e + f.bias(), kept << spare | rest));
}

// Values of `f` about integers and halves of them: all lengths of the whole part, and the rest near 0, 1/2 and 1.
void add_integers(const layout& f, values& list) {
  for (int whole = -2; whole <= std::min(f.bias(), 65); ++whole) {
    const int below = std::clamp(f.fraction_bits - whole, 0, f.fraction_bits);  // fraction bits below the point
    const std::uint64_t one = std::uint64_t{1} << below, half = one >> 1;
    for (const std::uint64_t kept : {std::uint64_t{0}, one, (f.hidden() - 1) & ~(one - 1)})
      for (const std::uint64_t rest : {std::uint64_t{0}, std::uint64_t{1}, half - 1, half, half + 1, one - 1})
        list.push_back(f.number(f.bias() + whole, (kept | (rest & (one - 1))) & (f.hidden() - 1)));
  }
}

values all_halves() {
  values list(65536);
  for (std::size_t i = 0; i != list.size(); ++i) list[i] = i;
  return list;
}

values make_corner_values(operand_kind kind) {
  return is_float(kind) ? float_corners(layout_of(kind)) : integer_corners(bits_of_kind(kind));
}

values make_few(operand_kind kind) {
  const layout& f = layout_of(kind);
  const std::uint64_t hidden = f.hidden(), quiet = hidden >> 1, infinity = f.number(f.top_exponent());
  const int bias = f.bias(), m = f.fraction_bits;
  return with_both_signs({0,
                          1,
                          hidden - 1,
                          hidden,
                          hidden | 1,
                          f.number(m + 1),
                          f.number(bias / 2 + 1, 3),
                          f.number(bias - m - 1),
                          f.number(bias - m, 1),
                          f.number(bias - 1, hidden - 1),
                          f.number(bias),
                          f.number(bias, 1),
                          f.number(bias, quiet),
                          f.number(bias, hidden - 1),
                          f.number(bias + 1),
                          f.number(bias + 1, 1),
                          f.number(bias + m, 1),
                          f.number(bias + m + 1),
                          f.number(bias + bias / 2, quiet + 1),
                          infinity - hidden,
                          infinity - 1,
                          infinity,
                          infinity | 1,
                          infinity | (quiet - 1),
                          infinity | quiet,
                          infinity | quiet | 5},
                         f.sign());
}

values make_dense(operand_kind kind) {
  if (bits_of_kind(kind) == 16) return all_halves();
  values list = make_corner_values(kind);
  if (!is_float(kind)) return list;
  const layout& f = layout_of(kind);
  for (const layout* to = layouts; to != &f; ++to) add_narrower(f, *to, list);
  add_integers(f, list);
  return with_both_signs(list, f.sign());
}

template <auto make>
const values& made_once(operand_kind kind) {
  static std::map<operand_kind, values> made;
  const auto [place, is_new] = made.try_emplace(kind);
  if (is_new) place->second = make(kind);
  return place->second;
}

std::uint64_t random_value(operand_kind kind, random_source& random) {
  const std::uint64_t bits = random.next() >> (64 - bits_of_kind(kind));
  switch (random.below(4)) {
    case 0: return bits;
    case 1: return random.pick(corner_values(kind));
    case 2: return random.pick(corner_values(kind)) ^ (bits & (bits >> 7) & 15);  // next to one
    default: return is_float(kind) ? bits : bits >> random.below(static_cast<std::uint64_t>(bits_of_kind(kind)));
  }
}

// `value` with the exponent field `exponent`, as far as the format goes.
std::uint64_t with_exponent(const layout& f, std::uint64_t value, std::int64_t exponent) {
  const auto field = static_cast<int>(std::clamp<std::int64_t>(exponent, 0, f.top_exponent() - 1));
  return f.number(field, value & (f.hidden() - 1)) | (value & f.sign());
}

std::int64_t exponent_of(const layout& f, std::uint64_t value) {
  return static_cast<std::int64_t>(value >> f.fraction_bits) & f.top_exponent();
}

// Brings the first operand close to the others: the second's exponent, or that of the other two's product.
void bring_near(const layout& f, operands& x, std::size_t count, random_source& random) {
  const std::int64_t second = exponent_of(f, x.value[1]);
  const std::int64_t near = count == 3 ? second + exponent_of(f, x.value[2]) - f.bias() : second;
  x.value[0] = with_exponent(f, x.value[0], near + random.between(-2, 3));
}

}  // namespace

const values& corner_values(operand_kind kind) { return made_once<make_corner_values>(kind); }
const values& few_corner_values(operand_kind kind) { return made_once<make_few>(kind); }
const values& dense_values(operand_kind kind) { return made_once<make_dense>(kind); }

operands random_operands(const routine& r, random_source& random) {
  operands x{};
  const std::size_t count = r.kinds.size();
  for (std::size_t i = 0; i != count; ++i) x.value[i] = random_value(r.kinds[i], random);
  const bool all_floats = std::ranges::all_of(r.kinds, is_float);
  if (all_floats && count > 1 && random.one_in(2)) bring_near(layout_of(r.kinds[0]), x, count, random);
  return x;
}

}  // namespace quern::judge
