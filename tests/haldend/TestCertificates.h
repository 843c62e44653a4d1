#pragma once

#include <gnutls/x509.h>

#include <ctime>

#include "haldend/TestMachine.h"

namespace corvane::haldend::test {

/// An authority and a server's certificate signed by it, made on the spot: cert.pem and key.pem for the
/// server, ca.pem for those who are to trust it.
class TestCertificates {
public:
    static constexpr std::time_t day = 24 * 60 * 60;

    /// `host` is a name or an IPv4 address; `end` is when the server's certificate expires and `begin` when
    /// it becomes valid, from now.
    explicit TestCertificates(const std::string& host = "localhost", std::time_t end = 2 * day,
                              std::time_t begin = -3 * day) {
        auto authorityKey = newKey();
        auto serverKey = newKey();
        auto authority = certificate("CN=Test Authority", authorityKey, 1, 2 * day);
        gnutls_x509_crt_set_ca_status(authority, 1);
        gnutls_x509_crt_set_key_usage(authority, GNUTLS_KEY_KEY_CERT_SIGN);
        sign(authority, authority, authorityKey);
        auto own = certificate("CN=" + host, serverKey, 2, end);
        gnutls_x509_crt_set_activation_time(own, std::time(nullptr) + begin);
        gnutls_x509_crt_set_subject_alt_name(own, GNUTLS_SAN_DNSNAME, host.data(),
                                             static_cast<unsigned>(host.size()), GNUTLS_FSAN_SET);
        sign(own, authority, authorityKey);
        write("ca.pem", authority);
        write("cert.pem", own);
        gnutls_datum_t text{};
        EXPECT_EQ(gnutls_x509_privkey_export2(serverKey, GNUTLS_X509_FMT_PEM, &text), 0);
        write("key.pem", text);
        for (auto* one : {authority, own})
            gnutls_x509_crt_deinit(one);
        for (auto* key : {authorityKey, serverKey})
            gnutls_x509_privkey_deinit(key);
    }

    [[nodiscard]] const std::string& folder() const { return folder_.path(); }
    [[nodiscard]] std::string authority() const { return folder_.path() + "/ca.pem"; }

private:
    static gnutls_x509_privkey_t newKey() {
        gnutls_x509_privkey_t key = nullptr;
        gnutls_x509_privkey_init(&key);
        EXPECT_EQ(gnutls_x509_privkey_generate(key, GNUTLS_PK_ECDSA,
                                               GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0),
                  0);
        return key;
    }
    static gnutls_x509_crt_t certificate(const std::string& subject, gnutls_x509_privkey_t key,
                                         unsigned char serial, std::time_t end) {
        gnutls_x509_crt_t made = nullptr;
        const auto now = std::time(nullptr);
        gnutls_x509_crt_init(&made);
        gnutls_x509_crt_set_version(made, 3);
        EXPECT_EQ(gnutls_x509_crt_set_dn(made, subject.c_str(), nullptr), 0);
        gnutls_x509_crt_set_serial(made, &serial, 1);
        gnutls_x509_crt_set_activation_time(made, now - 3 * day);
        gnutls_x509_crt_set_expiration_time(made, now + end);
        gnutls_x509_crt_set_key(made, key);
        return made;
    }
    static void sign(gnutls_x509_crt_t certificate, gnutls_x509_crt_t issuer, gnutls_x509_privkey_t key) {
        EXPECT_EQ(gnutls_x509_crt_sign2(certificate, issuer, key, GNUTLS_DIG_SHA256, 0), 0);
    }
    void write(const std::string& name, gnutls_x509_crt_t certificate) const {
        gnutls_datum_t text{};
        EXPECT_EQ(gnutls_x509_crt_export2(certificate, GNUTLS_X509_FMT_PEM, &text), 0);
        write(name, text);
    }
    void write(const std::string& name, gnutls_datum_t& text) const {
        folder_.write(name, {reinterpret_cast<char*>(text.data), text.size});
        gnutls_free(text.data);
    }

    TemporaryFolder folder_;
};

} // namespace corvane::haldend::test
