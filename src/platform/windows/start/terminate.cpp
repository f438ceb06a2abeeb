// Terminate: what happens on an exception that nobody catches: the program ends, without the compiler's report of it,
// whose reader of mangled names would be larger than the whole bridge's rules.
#include <cstdlib>
#include <exception>

namespace __cxxabiv1 {

// The name by which the compiler's library lets a program choose.
extern std::terminate_handler __terminate_handler;
std::terminate_handler __terminate_handler = std::abort;

}  // namespace __cxxabiv1
