/// @file
/// The error that calls of the library throw.
#pragma once

#include <gpuruntime/export.hpp>

#include <stdexcept>
#include <string>

namespace gpuruntime {

/// An error of the host environment, as a library built with the stand-in for that environment (the default) throws it.
/// A library built into the host environment raises that environment's own error instead.
class GPURUNTIME_API MessageError : public std::runtime_error {
 public:
  MessageError(const std::string& identifier, const std::string& text);
  ~MessageError() override;

  /// Identifier of the message, such as "vantor::gpu::device::UnknownCUDAError". `what()` gives it with a readable
  /// text.
  const std::string& identifier() const { return identifier_; }

 private:
  std::string identifier_;
};

}  // namespace gpuruntime
