# Shortcuts over the CMake presets; the scripts install what they need.
.PHONY: demo test test-asan bench clean
demo:
	bash scripts/demo.sh
test:
	bash scripts/test.sh
test-asan:
	PICTRACE_PRESET=asan bash scripts/test.sh
bench:
	cmake --preset release >/dev/null && cmake --build --preset release && ./build/release/bench/pictrace_bench
clean:
	rm -rf build out
