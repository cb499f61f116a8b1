tw_add_fuzzer(fuzz_bodyinflater LIBS tw_net)
