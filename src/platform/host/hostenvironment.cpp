#include "hostenvironment.hpp"

#include <gpuruntime/util/messageerror.hpp>

#include <utility>

namespace gpuruntime {

MessageError::MessageError(const std::string& identifier, const std::string& text)
    : std::runtime_error(identifier + ": " + text), identifier_(identifier) {}

MessageError::~MessageError() = default;

}  // namespace gpuruntime

namespace vellum_core {

BaseMsgID::BaseMsgID(std::string identifier, std::string text)
    : identifier_(std::move(identifier)), text_(std::move(text)) {}

BaseMsgID::~BaseMsgID() = default;

}  // namespace vellum_core

namespace vantor::gpu {

array::InvalidValue::InvalidValue()
    : BaseMsgID("vantor::gpu::array::InvalidValue", "A value is outside the range that the operation takes.") {}

device::UnknownCUDAError::UnknownCUDAError(const std::string& text)
    : BaseMsgID("vantor::gpu::device::UnknownCUDAError", "A call of the device runtime failed: " + text + ".") {}

}  // namespace vantor::gpu

void qxErrMsgId(const vellum_core::BaseMsgID& message) {
  throw gpuruntime::MessageError(message.identifier(), message.text());
}
