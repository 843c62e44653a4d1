#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/Authorization.h"
#include "platform/DynamicStore.h"
#include "platform/PropertyListCodec.h"

namespace corvane::contract {

/// An authorization service whose user may have the two rights of this program.
class AuthorizationUnderTest {
public:
    virtual ~AuthorizationUnderTest() = default;
    virtual platform::AuthorizationService& service() = 0;
};
struct AuthorizationCase {
    std::string name;
    std::function<std::unique_ptr<AuthorizationUnderTest>()> make;
};
class AuthorizationContract : public testing::TestWithParam<AuthorizationCase> {};

struct PropertyListCase {
    std::string name;
    std::function<std::unique_ptr<platform::PropertyListCodec>()> make;
};
class PropertyListContract : public testing::TestWithParam<PropertyListCase> {};

/// A store, a way to change what its one known key stands for, and its run loop.
class DynamicStoreUnderTest {
public:
    virtual ~DynamicStoreUnderTest() = default;
    virtual platform::DynamicStore& store() = 0;
    virtual void changeSearchPolicy() = 0;
    /// Runs what the run loop has to do.
    virtual void runLoop() = 0;
};
struct DynamicStoreCase {
    std::string name;
    std::function<std::unique_ptr<DynamicStoreUnderTest>()> make;
};
class DynamicStoreContract : public testing::TestWithParam<DynamicStoreCase> {};

/// The name of a case of any of these suites.
inline const auto nameOfCase = [](const auto& info) { return info.param.name; };

} // namespace corvane::contract
