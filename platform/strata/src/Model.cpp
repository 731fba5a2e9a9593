#include "strata/Model.h"

#include "StateText.h"
#include "strata/Topology.h"

#include <utility>

namespace strata {

struct Model::Data {
    std::string name;
    std::unique_ptr<Topology> topology;
    std::map<int, std::unique_ptr<TopologyMap>> maps;
};

Model::Model(const std::string& name) : _data(std::make_unique<Data>())
{
    _data->name = name;
    _data->topology.reset(new Topology());
}

Model::~Model() = default;

const std::string& Model::name() const
{
    return _data->name;
}

Topology* Model::topology() const
{
    return _data->topology.get();
}

TopologyMap* Model::createMeshMap(int number)
{
    std::unique_ptr<TopologyMap>& map = _data->maps[number];
    if (map == nullptr)
        map.reset(new TopologyMap(topology(), number));
    return map.get();
}

std::string Model::state() const
{
    return writeState(_data->name, *topology()->_store);
}

bool Model::reset(const std::string& state)
{
    auto store = std::make_unique<Store>();
    std::string name;
    if (!readState(state, name, *store))
        return false;
    store->topology = topology();
    topology()->_store = std::move(store);
    _data->name = std::move(name);
    return true;
}

} // namespace strata
