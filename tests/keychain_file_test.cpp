#include <gmock/gmock.h>
#include <libsecret/secret.h>

#include "platform/keychain/keychain.hpp"
#include "tests/support/environment.hpp"

using namespace platform;

namespace {

const KeychainKey key{"com.brenvik.velmora", "written", "Q7M2K9D4XW.com.brenvik.velmora.shared"};

/// As another program would, with an attribute of its own.
void storeForAnother(const KeychainKey& item, const char* secret) {
  const SecretSchema schema{.name = "com.example.other",
                            .attributes = {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                           {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                           {"access-group", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                           {"maker", SECRET_SCHEMA_ATTRIBUTE_STRING}}};
  secret_password_store_sync(&schema, nullptr, "x", secret, nullptr, nullptr, "service",
                             item.service.c_str(), "account", item.account.c_str(), "access-group",
                             item.accessGroup.c_str(), "maker", "somebody", nullptr);
}

std::string found(const KeychainKey& item) {
  const auto result = lookUpGenericPassword(item.service, item.account, item.accessGroup);
  return result.data.value_or(std::to_string(result.status));
}

}  // namespace

/// The library's own file store, in the place of a keyring.
using KeychainFile = tests::Environment;

TEST_F(KeychainFile, storingReplacesCopiesWithFurtherAttributes) {
  const KeychainKey spared{key.service, "spared", key.accessGroup};
  storeForAnother(key, "older");
  storeForAnother(spared, "of another account");
  EXPECT_EQ(found(key), "older");
  for (const char* secret : {"first", "second"}) {
    EXPECT_EQ(storeGenericPassword(key, "Velmora", secret), keychain_status::success);
    EXPECT_EQ(found(key), secret);
  }
  EXPECT_EQ(removeGenericPassword(key), keychain_status::success);
  EXPECT_EQ(found(key), std::to_string(keychain_status::itemNotFound)) << "nor an older one";
  EXPECT_EQ(removeGenericPassword(key), keychain_status::itemNotFound);
  EXPECT_EQ(found(spared), "of another account");
  removeGenericPassword(spared);
}
