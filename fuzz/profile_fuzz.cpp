// Settings and skin files: whatever the bytes, each key has a value that lies in the file, or none, and each
// colour is a colour.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/system/profile_file.h"
#include "shell/skin_colour.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (ParseSkinColour(bytes) > 0xFFFFFF) std::abort();
  for (const char* key : {"name", "folder", "bmpTitle", "colorBack", "CurrSkin", "NetworkRefresh"}) {
    std::string value;
    if (!platform::ReadProfileText(bytes, "Preference", key, value)) {
      if (!value.empty()) std::abort();
      continue;
    }
    if (bytes.find(value) == std::string_view::npos) std::abort();
    if (value.find('\n') != std::string::npos) std::abort();
    if (ParseSkinColour(value) > 0xFFFFFF) std::abort();
  }
  return 0;
}
