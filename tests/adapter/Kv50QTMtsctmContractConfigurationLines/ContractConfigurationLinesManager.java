package Kv50QTMtsctmContractConfigurationLines;

import NetListSelectionCriteria.NetListSelectionCriteria;
import export.Export;
import java.util.Enumeration;
import java.util.Iterator;

/** Its listings are enumerations of both kinds: the full one an Iterator, that of the changes an Enumeration. */
public final class ContractConfigurationLinesManager {
    public void Initialize(String businessComponent) {}

    public Iterator<ContractConfigurationLine> List(String lowContract, String highContract, int lowTerm, int highTerm,
            int lowLine, int highLine) {
        return new Export<>("Kv50QTMtsctmContractConfigurationLines.csv", ContractConfigurationLine::new)
                .within(lowContract, highContract, lowTerm, highTerm, lowLine, highLine);
    }

    public Enumeration<ContractConfigurationLine> NetListContractConfigurationLines(
            String table, NetListSelectionCriteria criteria) {
        Export<ContractConfigurationLine> changes =
                new Export<>("Kv50QTMtsctmContractConfigurationLines.changes.csv", ContractConfigurationLine::new)
                        .changedWithin(criteria);
        return enumerationOf(changes);
    }

    public void Close() {}

    private static <Row> Enumeration<Row> enumerationOf(Iterator<Row> rows) {
        return new Enumeration<Row>() {
            @Override
            public boolean hasMoreElements() {
                return rows.hasNext();
            }

            @Override
            public Row nextElement() {
                return rows.next();
            }
        };
    }
}
