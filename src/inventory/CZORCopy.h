// One installed copy of the product: its global profile, instances, TLR
// instances, its own version and its products, as its registry key holds them.
#pragma once

#include <string>
#include <vector>

#include "inventory/CParameter.h"
#include "inventory/CTLRInstance.h"
#include "inventory/CZORInstance.h"
#include "inventory/CZORProduct.h"
#include "inventory/CZORVersion.h"

class CZORCopy {
public:
    explicit CZORCopy(const std::string& copyName);

    // Reads the whole copy below its key under the current layout's root.
    void Collect();
    void CollectGlobalProfile();
    void CollectInstances();
    void CollectTLRInstances();
    void AddProduct(CZORProduct product);

    // The copy's block of the product report.
    void Write();
    void WriteGlobalProfiles();
    void WriteProducts();
    void WriteInstances();

    std::vector<CParameter> globalProfile;
    std::vector<CZORInstance> instances;
    CZORVersion version;
    std::vector<CTLRInstance> tlrInstances;
    std::vector<CZORProduct> products;
    int layout;
    std::string name;

private:
    std::string Key() const;
};
