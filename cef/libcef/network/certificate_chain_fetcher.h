// Reads the certificate chain a TLS server presents, by a handshake of the
// engine's own: Chromium reports a certificate error without the
// certificate, and answers questions about it only once the error is
// handled.

#ifndef CEF_LIBCEF_NETWORK_CERTIFICATE_CHAIN_FETCHER_H_
#define CEF_LIBCEF_NETWORK_CERTIFICATE_CHAIN_FETCHER_H_

#include <chrono>
#include <string>
#include <vector>

namespace cefengine {

// The DER certificates |host|:|port| sends, its own first; empty when the
// connection or the handshake fails within |timeout|. The name goes out as
// SNI (unless it is an address); nothing is verified, since only the chain
// is wanted. Name resolution is not bounded by |timeout|. Blocks the
// calling thread: never the engine UI or IO thread.
std::vector<std::string> FetchCertificateChain(
    const std::string& host,
    int port,
    std::chrono::milliseconds timeout);

}  // namespace cefengine

#endif  // CEF_LIBCEF_NETWORK_CERTIFICATE_CHAIN_FETCHER_H_
