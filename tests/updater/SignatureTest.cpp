#include "Updater/Signature.h"
#include "tests/updater/SigningKey.h"

#include <openssl/bn.h>

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

namespace ravlin {
namespace {

using tests::SigningKey;

struct Vector {
    const char* publicKey;
    const char* message;
    const char* signature;
};

// RFC 8032, section 7.1, tests 1 to 3.
const Vector kVectors[] = {
    {"d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a", "",
     "e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e065224901555fb8821590a33bacc61e39701cf9b46bd25bf5f0595bbe246"
     "5"
     "5141438e7a100b"},
    {"3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c", "72",
     "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb"
     "0"
     "0d291612bb0c00"},
    {"fc51cd8e6218a1a38da47ed00230f0580816ed13ba3303ac5deb911548908025", "af82",
     "6291d657deec24024827e69c3abe01a30ce548a284743a445e3680d7db5ac3ac18ff9b538d16f290ae67f760984dc6594a7c15e9716ed28dc"
     "0"
     "27beceea1ec40a"},
};

QByteArray base64(const char* hex) {
    return QByteArray::fromHex(hex).toBase64();
}

TEST(Signature, AcceptsTheVectorsOfTheStandard) {
    for (const Vector& vector : kVectors) {
        const auto key = Signature::parsePublicKey(base64(vector.publicKey));
        ASSERT_TRUE(key.has_value());
        EXPECT_TRUE(Signature::isGenuine(QByteArray::fromHex(vector.message), base64(vector.signature), {*key}));
        EXPECT_FALSE(Signature::isGenuine("other", base64(vector.signature), {*key}));
    }
}

TEST(Signature, AnyOfTheKeysMaySign) {
    const SigningKey old(1);
    const SigningKey fresh(2);
    const SigningKey stranger(3);
    const std::vector both = {old.publicKey(), fresh.publicKey()};
    EXPECT_TRUE(Signature::isGenuine("text", old.sign("text"), both));
    EXPECT_TRUE(Signature::isGenuine("text", fresh.sign("text"), both));
    EXPECT_FALSE(Signature::isGenuine("text", stranger.sign("text"), both));
    EXPECT_FALSE(Signature::isGenuine("text", old.sign("text"), {}));
}

TEST(Signature, EveryChangedBitIsSeen) {
    const SigningKey key;
    const QByteArray genuine = QByteArray::fromBase64(key.sign("text"));
    for (int bit = 0; bit < 64 * 8; ++bit) {
        QByteArray changed = genuine;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << (bit % 8)));
        EXPECT_FALSE(Signature::isGenuine("text", changed.toBase64(), {key.publicKey()})) << bit;
    }
}

TEST(Signature, WhatIsNoSignatureIsNotGenuine) {
    const SigningKey key;
    const QByteArray genuine = key.sign("text");
    for (const QByteArray& other :
         {QByteArray(), QByteArray("="), QByteArray("AAAA"), genuine.first(genuine.size() - 1), genuine + "=",
          genuine + "\n", " " + genuine, genuine + genuine}) {
        EXPECT_FALSE(Signature::isGenuine("text", other, {key.publicKey()})) << other.toStdString();
    }
}

TEST(Signature, AKeyIsExactly32BytesOfBase64) {
    const QByteArray bytes(32, 'k');
    EXPECT_TRUE(Signature::parsePublicKey(bytes.toBase64()).has_value());
    for (const QByteArray& other : {QByteArray(), bytes, bytes.toHex(), QByteArray(31, 'k').toBase64(),
                                    QByteArray(33, 'k').toBase64(), bytes.toBase64() + " "}) {
        EXPECT_FALSE(Signature::parsePublicKey(other).has_value()) << other.toStdString();
    }
}

// Arithmetic modulo the prime of Curve25519, to find which points the rejected keys are.
class Field {
public:
    using Number = std::unique_ptr<BIGNUM, decltype(&BN_free)>;

    Field() {
        BN_set_bit(prime_.get(), 255);
        BN_sub_word(prime_.get(), 19);
    }
    static Number make(BN_ULONG value) {
        Number number(BN_new(), &BN_free);
        BN_set_word(number.get(), value);
        return number;
    }
    static Number read(const PublicKey& littleEndian) {
        Number number(BN_lebin2bn(littleEndian.data(), static_cast<int>(littleEndian.size()), nullptr), &BN_free);
        BN_clear_bit(number.get(), 255);  // the sign of x
        return number;
    }
    Number times(const Number& a, const Number& b) const {
        Number result = make(0);
        BN_mod_mul(result.get(), a.get(), b.get(), prime_.get(), context_.get());
        return result;
    }
    Number plus(const Number& a, const Number& b) const {
        Number result = make(0);
        BN_mod_add(result.get(), a.get(), b.get(), prime_.get(), context_.get());
        return result;
    }
    /// d = -121665 / 121666.
    Number d() const {
        const Number inverse(BN_mod_inverse(nullptr, make(121666).get(), prime_.get(), context_.get()), &BN_free);
        Number result = times(make(121665), inverse);
        BN_sub(result.get(), prime_.get(), result.get());
        return result;
    }
    bool isZero(const Number& number) const {
        Number rest = make(0);
        BN_nnmod(rest.get(), number.get(), prime_.get(), context_.get());
        return BN_is_zero(rest.get());
    }
    Number minusOne() const {
        Number result(BN_dup(prime_.get()), &BN_free);
        BN_sub_word(result.get(), 1);
        return result;
    }

private:
    std::unique_ptr<BN_CTX, decltype(&BN_CTX_free)> context_{BN_CTX_new(), &BN_CTX_free};
    Number prime_ = make(0);
};

/// Whether eight times a point with this y is the neutral one: y (y^2 - 1) (d y^4 + 2 y^2 - 1) = 0.
bool hasSmallOrder(const PublicKey& key) {
    const Field field;
    const Field::Number y = Field::read(key);
    const Field::Number square = field.times(y, y);
    const Field::Number quartic = field.plus(field.times(field.times(field.d(), square), square),
                                             field.plus(field.times(Field::make(2), square), field.minusOne()));
    return field.isZero(field.times(field.times(y, field.plus(square, field.minusOne())), quartic));
}

const char* const kSmallOrder[] = {
    "0000000000000000000000000000000000000000000000000000000000000000",
    "0100000000000000000000000000000000000000000000000000000000000000",
    "26e8958fc2b227b045c3f489f2ef98f0d5dfac05d3c63339b13802886d53fc05",
    "c7176a703d4dd84fba3c0b760d10670f2a2053fa2c39ccc64ec7fd7792ac037a",
    "ecffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff7f",
    "edffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff7f",
    "eeffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff7f",
};

TEST(Signature, PointsOfSmallOrderAreNoKeys) {
    for (const char* const hex : kSmallOrder) {
        for (const int sign : {0, 0x80}) {
            QByteArray bytes = QByteArray::fromHex(hex);
            bytes.back() = static_cast<char>(bytes.back() | sign);
            PublicKey key{};
            std::ranges::copy(bytes, key.begin());
            EXPECT_TRUE(hasSmallOrder(key)) << hex;
            EXPECT_FALSE(Signature::parsePublicKey(bytes.toBase64()).has_value()) << hex;
        }
    }
}

TEST(Signature, TheirNeighboursAreKeys) {
    for (const char* const hex : kSmallOrder) {
        for (const int index : {1, 16, 30}) {
            QByteArray bytes = QByteArray::fromHex(hex);
            bytes[index] = static_cast<char>(bytes[index] ^ 1);
            PublicKey key{};
            std::ranges::copy(bytes, key.begin());
            EXPECT_FALSE(hasSmallOrder(key)) << hex;
            EXPECT_TRUE(Signature::parsePublicKey(bytes.toBase64()).has_value()) << hex;
        }
    }
}

}  // namespace
}  // namespace ravlin
