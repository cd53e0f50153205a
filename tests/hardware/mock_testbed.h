// Pieces that mock devices share: their place in the system, memory of requests.
// SPDX-License-Identifier: MIT
#pragma once

#include <umockdev.h>

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>

namespace kestrel {

struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, Unref>;

// A part of the memory that a device request points at, as the mock's own copy.
using RequestData = GObjectPtr<UMockdevIoctlData>;

inline RequestData Resolve(UMockdevIoctlData* request, std::size_t offset, std::size_t size) {
  RequestData data(umockdev_ioctl_data_resolve(request, offset, size, nullptr));
  if (!data) throw std::runtime_error("a device request points nowhere");
  return data;
}

// Devices that exist for this process alone. The process must run under umockdev-wrapper.
class MockTestbed {
 public:
  MockTestbed() : testbed_(umockdev_testbed_new()) {
    if (umockdev_in_mock_environment() == 0) {
      throw std::runtime_error("this program has to be run by umockdev-wrapper");
    }
    std::filesystem::permissions(Root(), std::filesystem::perms(0755));
    setenv("KESTREL_LOCKS", Root().c_str(), 1);  // mock devices are no other test's
  }

  [[nodiscard]] UMockdevTestbed* Get() const { return testbed_.get(); }
  [[nodiscard]] std::string Root() const {
    const std::unique_ptr<char, decltype(&g_free)> folder(
        umockdev_testbed_get_root_dir(testbed_.get()), &g_free);
    return folder.get();
  }
  void Add(const std::string& description) {
    GError* error = nullptr;
    if (umockdev_testbed_add_from_string(testbed_.get(), description.c_str(), &error) == 0) {
      throw std::runtime_error(error->message);
    }
  }

 private:
  GObjectPtr<UMockdevTestbed> testbed_;
};

// Answers the requests of one device node, on the testbed's own thread and one at a time: 0 or
// more is the request's result, a negative number the error.
class MockNode {
 public:
  using Answer = std::function<long(unsigned long request, UMockdevIoctlData* argument)>;

  MockNode(MockTestbed& testbed, std::string node, Answer answer)
      : testbed_(testbed),
        node_(std::move(node)),
        answer_(std::move(answer)),
        handler_(umockdev_ioctl_base_new()) {
    g_signal_connect(handler_.get(), "handle-ioctl", G_CALLBACK(OnIoctl), this);
    GError* error = nullptr;
    if (umockdev_testbed_attach_ioctl(testbed.Get(), node_.c_str(), handler_.get(), &error) == 0) {
      throw std::runtime_error(error->message);
    }
  }
  ~MockNode() { umockdev_testbed_detach_ioctl(testbed_.Get(), node_.c_str(), nullptr); }
  MockNode(const MockNode&) = delete;
  MockNode& operator=(const MockNode&) = delete;

 private:
  static gboolean OnIoctl(UMockdevIoctlBase* /*handler*/, UMockdevIoctlClient* client,
                          gpointer node) {
    const long result = static_cast<MockNode*>(node)->answer_(
        umockdev_ioctl_client_get_request(client), umockdev_ioctl_client_get_arg(client));
    umockdev_ioctl_client_complete(client, result < 0 ? -1 : result,
                                   result < 0 ? static_cast<int>(-result) : 0);
    return TRUE;
  }

  MockTestbed& testbed_;
  std::string node_;
  Answer answer_;
  GObjectPtr<UMockdevIoctlBase> handler_;
};

}  // namespace kestrel
