tw_add_fuzzer(fuzz_customtokens LIBS tw_custom)
