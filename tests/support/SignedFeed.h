#pragma once

#include "base/Require.h"

#include <array>
#include <string>
#include <string_view>

#include <sodium.h>

namespace quillon {

/// A maker of feeds with an Ed25519 key of its own. The same seed makes the same key.
class FeedSigner
{
public:
    explicit FeedSigner(unsigned char seed = 1)
    {
        require(sodium_init() >= 0, "libsodium works");
        std::array<unsigned char, crypto_sign_SEEDBYTES> seeds{};
        seeds.fill(seed);
        crypto_sign_seed_keypair(public_.data(), secret_.data(), seeds.data());
    }

    std::string publicKey() const { return base64(public_.data(), public_.size()); }
    /// Returns the signed feed of this text.
    std::string sign(std::string_view json) const
    {
        std::array<unsigned char, crypto_sign_BYTES> signature{};
        crypto_sign_detached(signature.data(), nullptr,
                             reinterpret_cast<const unsigned char *>(json.data()), json.size(),
                             secret_.data());
        return base64(signature.data(), signature.size()).append("\n").append(json);
    }

private:
    static std::string base64(const unsigned char *bytes, std::size_t size)
    {
        std::string text(sodium_base64_encoded_len(size, sodium_base64_VARIANT_ORIGINAL), '\0');
        sodium_bin2base64(text.data(), text.size(), bytes, size, sodium_base64_VARIANT_ORIGINAL);
        text.pop_back(); // the terminating zero
        return text;
    }

    std::array<unsigned char, crypto_sign_PUBLICKEYBYTES> public_{};
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secret_{};
};

} // namespace quillon
