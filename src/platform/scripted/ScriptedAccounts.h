// The scripted machine's accounts: filled in with the collector that reads them.
#pragma once

namespace platform {
namespace scripted {

struct Accounts {
};

}  // namespace scripted
}  // namespace platform
