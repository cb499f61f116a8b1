tw_add_fuzzer(fuzz_sky LIBS tw_weather)
