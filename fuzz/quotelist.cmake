tw_add_fuzzer(fuzz_quotelist LIBS tw_workspace)
