// Where nothing can be published, whoever asks for it is told so.
// SPDX-License-Identifier: MIT
#include "numeric/runtime_error.h"
#include "publish/publisher.h"

namespace kestrel::publish {

std::unique_ptr<Publisher> MakePublisher(const PublisherChoice& /*choice*/) {
  throw RuntimeError("on this system nothing is published: leave the section out of the plan");
}

}  // namespace kestrel::publish
