// Makes a failed allocation return null under the address sanitizer too, instead of terminating the tests.

extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
