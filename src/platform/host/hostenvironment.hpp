/// @file
/// Stand-in for the closed libraries of the host environment: the message identifiers that this library raises, and
/// the function that raises them. An integrator builds against the real ones instead.
#pragma once

#include <string>

namespace vellum_core {

/// Identifies a message of the host environment's catalogue; this stand-in carries the readable text itself.
class BaseMsgID {
 public:
  virtual ~BaseMsgID();

  const std::string& identifier() const { return identifier_; }
  const std::string& text() const { return text_; }

 protected:
  BaseMsgID(std::string identifier, std::string text);

 private:
  std::string identifier_;
  std::string text_;
};

}  // namespace vellum_core

namespace vantor::gpu {

namespace array {
/// A value lies outside what the operation can take.
class InvalidValue : public vellum_core::BaseMsgID {
 public:
  InvalidValue();
};
}  // namespace array

namespace device {
/// A call of the device runtime failed; `text` is the runtime's own description.
class UnknownCUDAError : public vellum_core::BaseMsgID {
 public:
  explicit UnknownCUDAError(const std::string& text);
};
}  // namespace device

}  // namespace vantor::gpu

/// Raises an error of the host environment and does not return: here it throws gpuruntime::MessageError.
void qxErrMsgId(const vellum_core::BaseMsgID& message);
