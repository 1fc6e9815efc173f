#include "core/qvutils/diag/valuewitness.h"

#include <utility>

namespace qv {
namespace {

thread_local ValueWitness* t_witness = nullptr;

}  // namespace

ValueWitness::ValueWitness() : m_outer(std::exchange(t_witness, this)) {}
ValueWitness::~ValueWitness() {
    t_witness = m_outer;
}
ValueWitness* ValueWitness::Innermost() {
    return t_witness;
}

}  // namespace qv
