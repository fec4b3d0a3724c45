// The page of captures: one HTML file, made of the empty page of this build and a model.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vordascope
{

/// The page without captures. Empty text when this build has none (its tools were missing).
std::string_view empty_page();

/// The fields that the page shows first, "title\tpath\n" each. Empty text when there is no page.
std::string_view page_figures();

/// `model`, JSON of any size, baked into `page`: deflated and in base64, so that nothing a capture
/// holds can become markup. `plain`, HTML, stands where the page will show, until a script has it
/// shown. No value when `page` has no place for them or memory runs out.
std::optional<std::string> page_with(std::string_view page, std::string_view model,
                                     std::string_view plain);

/// `page` for a server that tells it what there is to show: where captures are baked in it says
/// "live", and its policy allows it to ask where it comes from. Empty text when `page` has no
/// place for that.
std::string live_page(std::string_view page);

} // namespace vordascope
