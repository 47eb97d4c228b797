package Kv50QTMtsctmServiceContracts;

import NetListSelectionCriteria.NetListSelectionCriteria;
import export.Export;
import java.util.Iterator;

public final class ServiceContractsManager {
    public void Initialize(String businessComponent) {}

    public Iterator<ServiceContract> List(String lowContract, String highContract) {
        return new Export<>("Kv50QTMtsctmServiceContracts.csv", ServiceContract::new)
                .within(lowContract, highContract);
    }

    public Iterator<ServiceContract> NetListServiceContracts(String table, NetListSelectionCriteria criteria) {
        return new Export<>("Kv50QTMtsctmServiceContracts.changes.csv", ServiceContract::new)
                .changedWithin(criteria);
    }

    public void Close() {}
}
