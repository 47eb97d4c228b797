package Kv50QTMtsctmContractConfigurationLines;

import export.Fields;

public final class ContractConfigurationLine {
    private final Fields fields;
    private final Fields old;

    ContractConfigurationLine(Fields fields, Fields old) {
        this.fields = fields;
        this.old = old;
    }

    public boolean hasServiceContract() {
        return fields.has("ServiceContract");
    }

    public String getServiceContract() {
        return fields.text("ServiceContract");
    }

    public boolean hasContractTerms() {
        return fields.has("ContractTerms");
    }

    public Integer getContractTerms() {
        return fields.number("ContractTerms");
    }

    public void setContractTerms(int terms) {
        fields.set("ContractTerms", terms);
    }

    public boolean hasLine() {
        return fields.has("Line");
    }

    public Integer getLine() {
        return fields.number("Line");
    }

    public boolean hasConfiguration() {
        return fields.has("Configuration");
    }

    public String getConfiguration() {
        return fields.text("Configuration");
    }

    public boolean hasEffectiveDate() {
        return fields.has("EffectiveDate");
    }

    public String getEffectiveDate() {
        return fields.text("EffectiveDate");
    }

    public boolean hasExpiryDate() {
        return fields.has("ExpiryDate");
    }

    public String getExpiryDate() {
        return fields.text("ExpiryDate");
    }

    public String getActionType() {
        return fields.text("ActionType");
    }

    public boolean hasContractConfigurationLines() {
        return !old.isEmpty();
    }

    public ContractConfigurationLine getContractConfigurationLines() {
        return old.isEmpty() ? null : new ContractConfigurationLine(old, new Fields());
    }
}
