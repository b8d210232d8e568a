# Two entry points on a fresh machine: `make demo` and `make test`.
BUILD ?= build
JOBS ?= $(shell nproc)

.PHONY: all deps configure build test unit lit diff demo bench clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/build.ninja: CMakeLists.txt tests/CMakeLists.txt
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null

configure: deps $(BUILD)/build.ninja

build: configure
	ninja -C $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && ctest --output-on-failure

unit: build
	$(BUILD)/tests/unit-tests

lit: build
	python3 $$(llvm-config-14 --prefix)/build/utils/lit/lit.py -sv $(BUILD)/tests/lit

# Random csmith programs through the differential test bed: make diff N=500
N ?= 100
diff: build
	tests/diff/run --bin $(BUILD) -j $(JOBS) --random $(N)

demo: build
	@scripts/demo $(BUILD)

bench: build
	bench/run --bin $(BUILD)

clean:
	rm -rf $(BUILD)
