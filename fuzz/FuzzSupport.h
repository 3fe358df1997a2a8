// Helpers that the fuzz targets share: how a target reports a broken
// property, and how it draws texts from the fuzzer's bytes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

// Stops the run with `what` on the error stream when `holds` is false, so that
// libFuzzer keeps the input as a crash.
void Require(bool holds, const std::string& what);

// A text as the system's C-string calls see it: up to its first zero byte.
std::string AsCString(const std::string& text);

// One of `known` or, about as often, a text of the fuzzer's own of at most
// `maxLength` bytes; cut at its first zero byte either way. The known texts
// lead the fuzzer to the names that the system itself uses.
std::string PickText(FuzzedDataProvider& data, const std::vector<std::string>& known,
                     std::size_t maxLength);

// The text with each ASCII letter in the case that the fuzzer chooses.
std::string WithFuzzedCase(FuzzedDataProvider& data, const std::string& text);

// The text with its ASCII letters in lower case.
std::string AsciiFolded(const std::string& text);

// Deletes a profile file and lets the profile calls find it gone, so that
// nothing of it stays in their memory after the input: libFuzzer takes memory
// that outlives an input for a leak, and checks every such input again.
void RemoveProfileFile(const std::string& path);
