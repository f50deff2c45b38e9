#pragma once
// A workbench on the headless platform, as the CLI builds it: messages are
// recorded, file dialogs answered from a queue, drawings recorded.
#include "model/headless_platform.h"
#include "ui/workbench.h"

namespace voltrix::test {

struct HeadlessWorkbench {
  HeadlessPlatform platform;
  Workbench wb{platform.platform()};
  const std::vector<std::string>& messages() const { return platform.messages.shown; }
};

}  // namespace voltrix::test
