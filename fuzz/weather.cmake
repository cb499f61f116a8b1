tw_add_fuzzer(fuzz_weather LIBS tw_weather)
