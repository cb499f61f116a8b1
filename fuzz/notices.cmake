tw_add_fuzzer(fuzz_notices LIBS tw_notices)
