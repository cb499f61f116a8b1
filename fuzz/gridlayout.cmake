tw_add_fuzzer(fuzz_gridlayout LIBS tw_model)
# The decoder lives in the library: give libFuzzer its coverage, not only the harness's.
target_compile_options(tw_model PRIVATE -fsanitize=fuzzer-no-link)
