// Under the address sanitizer a refused allocation gives null, as it does without it, instead of ending the
// tests.

extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
