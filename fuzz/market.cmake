tw_add_fuzzer(fuzz_market LIBS tw_market)
