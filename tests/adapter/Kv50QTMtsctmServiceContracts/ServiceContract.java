package Kv50QTMtsctmServiceContracts;

import export.Fields;

public final class ServiceContract {
    private final Fields fields;
    private final Fields old;

    ServiceContract(Fields fields, Fields old) {
        this.fields = fields;
        this.old = old;
    }

    public String getServiceContract() {
        return fields.text("ServiceContract");
    }

    public boolean hasDescription() {
        return fields.has("Description");
    }

    public String getDescription() {
        return fields.text("Description");
    }

    public boolean hasContractStatus() {
        return fields.has("ContractStatus");
    }

    public Integer getContractStatus() {
        return fields.number("ContractStatus");
    }

    public String getActionType() {
        return fields.text("ActionType");
    }

    public boolean hasServiceContracts() {
        return !old.isEmpty();
    }

    public ServiceContract getServiceContracts() {
        return old.isEmpty() ? null : new ServiceContract(old, new Fields());
    }
}
