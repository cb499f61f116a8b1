tw_add_fuzzer(fuzz_github LIBS tw_connected)
tw_add_fuzzer(fuzz_homeassistant LIBS tw_connected)
