// The scripted machine's processes: filled in with the collector that reads them.
#pragma once

namespace platform {
namespace scripted {

struct Processes {
};

}  // namespace scripted
}  // namespace platform
