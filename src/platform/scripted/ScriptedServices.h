// The scripted machine's services: filled in with the collector that reads them.
#pragma once

namespace platform {
namespace scripted {

struct Services {
};

}  // namespace scripted
}  // namespace platform
