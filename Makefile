# The two commands a newcomer types: `make run` and `make test`.
BUILD ?= build
BUILD_TYPE ?= RelWithDebInfo
SANITIZE ?= OFF
JOBS ?= $(shell nproc)

.PHONY: deps configure build test run clean sanitize install bench

deps:
	@scripts/install-deps.sh

configure: deps
	@cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=$(BUILD_TYPE) -DTOLM_SANITIZE=$(SANITIZE) >/dev/null

build: configure
	@cmake --build $(BUILD) -j $(JOBS)

test: build
	@cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --repeat until-pass:2

# The same tests under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize:
	@$(MAKE) test BUILD=build-asan BUILD_TYPE=Debug SANITIZE=ON

# What each key costs on the wire, start-up time and memory (see README).
bench: build
	@$(BUILD)/bin/tolm-bench

run: build
	@scripts/run-demo.sh $(BUILD)

# On a real host: the console into /usr/local/sbin and its PAM service into /etc/pam.d.
install: build
	@cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) build-asan
