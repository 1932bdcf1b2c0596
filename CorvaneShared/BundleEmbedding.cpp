#include "CorvaneShared/BundleEmbedding.h"

namespace corvane {

namespace {

// The folders between the companion's bundle and the agent's in the portable layout.
constexpr int embeddingDepth = 4;

}  // namespace

std::optional<std::filesystem::path> embeddingAppBundle(const std::filesystem::path& agentBundle) {
    std::filesystem::path candidate = agentBundle.lexically_normal();
    if (!candidate.has_filename()) {
        candidate = candidate.parent_path();
    }
    for (int level = 0; level < embeddingDepth; ++level) {
        candidate = candidate.parent_path();
    }
    if (candidate.extension() != ".app") {
        return std::nullopt;
    }
    return candidate;
}

}  // namespace corvane
