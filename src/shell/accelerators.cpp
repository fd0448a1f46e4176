#include "shell/accelerators.h"

#include <string_view>

#include "platform/desktop/messages.h"

namespace {

constexpr UINT kPlain = FVIRTKEY;
constexpr UINT kControl = FVIRTKEY | FCONTROL;
constexpr UINT kAlt = FVIRTKEY | FALT;

constexpr Accelerator kMainTable[] = {
    {kPlain, VK_INSERT, kAccNew},  {kControl, 'F', kAccFind},       {kControl, 'N', kAccNewFile},
    {kControl, 'O', kAccOpenFile}, {kControl, 'P', kAccPrint},      {kPlain, VK_F1, kAccHelp},
    {kAlt, 'F', kAccFileMenu},     {kAlt, 'H', kAccHelpMenu},       {kAlt, '1', kAccFirstPane},
    {kAlt, '2', kAccSecondPane},   {kControl, 'X', kAccCut},        {kControl, 'C', kAccCopy},
    {kControl, 'V', kAccPaste},    {kControl, 'Z', kAccUndo},       {kControl, 'A', kAccOpenAttachment},
    {kPlain, VK_RETURN, kAccEdit}, {kPlain, VK_DELETE, kAccDelete},
};

}  // namespace

std::span<const Accelerator> LoadAccelerators(const char* name) {
  if (std::string_view(name) == "ACC") return kMainTable;
  return {};
}
