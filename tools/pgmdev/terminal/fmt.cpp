// The code of fmt, compiled once for the whole command: every other file includes no more than its declarations, in
// fmt/core.h. These are the templates that fmt's headers leave to such a file.

#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {
template FMT_API auto thousands_sep_impl<char>(locale_ref) -> thousands_sep_result<char>;
template FMT_API auto decimal_point_impl(locale_ref) -> char;
}  // namespace detail
FMT_END_NAMESPACE
