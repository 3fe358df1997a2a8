// The scripted machine's computer: filled in with the collector that reads them.
#pragma once

namespace platform {
namespace scripted {

struct Computer {
};

}  // namespace scripted
}  // namespace platform
