tw_add_fuzzer(fuzz_topology LIBS tw_displays)
# The decoders and the resolver live in the library: give libFuzzer their coverage too.
target_compile_options(tw_displays PRIVATE -fsanitize=fuzzer-no-link)
