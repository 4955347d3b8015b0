#include "companion/token_exchange.hpp"

// A unit of its own, so that a test program can link another address.
std::string companion::revocationURL() { return VELMORA_REVOCATION_URL; }
