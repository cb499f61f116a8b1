tw_add_fuzzer(fuzz_jsonrepair LIBS tw_platform)
