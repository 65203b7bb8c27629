// The code of the formatting library, for all sources: with it in each, they would take twice as long to compile.
#include <fmt/format-inl.h>

// What its headers leave to be instantiated in one place.
namespace fmt::detail {
template auto thousands_sep_impl<char>(locale_ref) -> thousands_sep_result<char>;
template auto decimal_point_impl<char>(locale_ref) -> char;
template std::locale locale_ref::get<std::locale>() const;
}  // namespace fmt::detail
