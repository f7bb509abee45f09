// What the product is called and whom its users turn to: the settings a publisher changes, in one place.
#pragma once

namespace kv::util::product {

/// Named in messages that ask the user to send the tech-support log.
inline constexpr wchar_t kSupportContact[] = L"Korvane technical support";

}  // namespace kv::util::product
