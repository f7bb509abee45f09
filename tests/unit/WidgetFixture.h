// For tests of widgets: a window that records the changes it is told of, and errors as numbers.
#pragma once

#include <vector>

#include "formenv/Widget.h"
#include "util/RuntimeError.h"

namespace kv::formenv {

class RecordingPeer final : public Peer {
  public:
    void changed(Change what) override { changes.push_back(what); }
    std::vector<Change> changes;
};

/// The number of the run-time error that ends `body`, 0 for none.
template <class F>
int errorOf(F&& body) {
    try {
        body();
    } catch (const util::RuntimeError& error) {
        return error.number();
    }
    return 0;
}

}  // namespace kv::formenv
